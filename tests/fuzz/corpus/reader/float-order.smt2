(declare-const x Float32)(declare-const y Float32)(declare-const z Float32)
(assert (or (fp.eq x y z) (fp.lt x y z) (fp.leq x y z) (fp.gt x y z) (fp.geq x y z)))
(assert (fp.lt (_ -oo 8 24) (ite (fp.lt x y) x y) (_ +oo 8 24)))
(check-sat)
