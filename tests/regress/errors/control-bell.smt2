; expect: 3:9: stray byte 0x07
(check-sat)
(assert true)
