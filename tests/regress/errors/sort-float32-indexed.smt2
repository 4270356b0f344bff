; expect: 2:21: Float32 takes no indices, got 1
(declare-const f (_ Float32 8))
