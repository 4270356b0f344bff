; Is "not less" the same as "greater or equal"? A model says where it is not.
(set-logic QF_FP)
(declare-const x Float32)
(assert (distinct (not (fp.lt x (_ +zero 8 24))) (fp.geq x (_ +zero 8 24))))
(check-sat)
(get-model)
