; expect: 2:19: the sort BitVec takes no sorts as arguments
(declare-const f (BitVec 8))
