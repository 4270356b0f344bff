; expect: 3:17: RNE takes no indices, got 2
(declare-const r RoundingMode)
(assert (= r (_ RNE 8 24)))
