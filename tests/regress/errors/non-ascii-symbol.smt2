; expect: 2:16: stray byte 0xC3; a symbol with such characters is written between bars: |...|
(declare-const über Bool)
