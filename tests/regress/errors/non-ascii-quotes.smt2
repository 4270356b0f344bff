; expect: 2:7: stray byte 0xE2; a symbol with such characters is written between bars: |...|
(echo “done”)
