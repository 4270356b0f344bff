(declare-const a (Array Bool Bool))
(assert (= (select a true) (select a #b1)))
