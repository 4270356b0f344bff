; expect: 3:14: expected an attribute, got 'named'
(declare-const p Bool)
(assert (! p named f))
