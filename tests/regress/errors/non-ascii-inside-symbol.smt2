; expect: 2:18: stray byte 0xC3; a symbol with such characters is written between bars: |...|
(declare-const naïve Bool)
