; expect: 2:11: stray byte 0x01
(assert true)
