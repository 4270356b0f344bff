; expect: 4:15: concat: operands of (_ BitVec 1048570) and (_ BitVec 8) make 1048578 bits; widths go up to 1048576
(declare-const a (_ BitVec 8))
(declare-const w (_ BitVec 1048570))
(assert (= w (concat w a)))
