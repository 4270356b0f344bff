; expect: 2:21: Bool takes no indices, got 1
(declare-const f (_ Bool 1))
