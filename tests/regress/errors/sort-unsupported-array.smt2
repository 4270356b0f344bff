; expect: 2:19: Array is not supported
(declare-const f (Array (_ BitVec 8) Bool))
