; expect: 4:10: select: the index must be of (_ BitVec 8), got a term of (_ BitVec 4)
(declare-const a (Array (_ BitVec 8) Bool))
(declare-const i (_ BitVec 4))
(assert (select a i))
