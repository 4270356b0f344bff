(declare-const p Bool)
(assert (! (! (not p) :named first) :pattern (a b) :weight 3 :named |the second|))
(assert (=> first |the second|))
(get-assertions)
