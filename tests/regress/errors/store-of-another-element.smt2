; expect: 4:20: store: the element must be of Bool, got a term of (_ BitVec 8)
(declare-const a (Array (_ BitVec 8) Bool))
(declare-const i (_ BitVec 8))
(assert (select (  store a i i) i))
