; expect: 3:14: unknown symbol 'rne'
(declare-const r RoundingMode)
(assert (= r rne))
