; expect: 3:9: stray byte 0x7F
(check-sat)
(assert true)
