; expect: 2:8: stray byte 0xC2; a symbol with such characters is written between bars: |...|
(assert true)
