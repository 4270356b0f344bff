(declare-const a (_ BitVec 1048576))
(assert (= a (bvnot ((_ repeat 262144) #x5))))
(assert (= ((_ zero_extend 1048572) #xf) ((_ sign_extend 1048575) #b1)))
(check-sat)
