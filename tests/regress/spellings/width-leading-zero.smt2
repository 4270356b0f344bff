; strict: 2:28: the number 08 begins with a needless zero
(declare-const x (_ BitVec 08))
(set-info :status sat)
(check-sat)
