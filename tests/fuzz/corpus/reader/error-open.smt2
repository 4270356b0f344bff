(declare-const x Float16)
(assert (fp.lt x (fp.neg x)
