; expect: 3:18: rotate_right takes 1 argument, got 2
(declare-const a (_ BitVec 8))
(assert (= a ((_ rotate_right 1) a a)))
