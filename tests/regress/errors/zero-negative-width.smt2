; expect: 3:25: expected a numeral, got '-24'
(declare-const x Float32)
(assert (= x (_ -zero 8 -24)))
