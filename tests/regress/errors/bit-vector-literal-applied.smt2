; expect: 3:18: 'bv1' is no function and takes no arguments
(declare-const a (_ BitVec 8))
(assert (= a ((_ bv1 8) a)))
