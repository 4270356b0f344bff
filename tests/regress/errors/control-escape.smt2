; expect: 3:9: stray byte 0x1B
(check-sat)
(assert true)
