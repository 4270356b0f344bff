; expect: 3:9: stray byte 0x0C
(check-sat)
(assert true)
