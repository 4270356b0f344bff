; expect: 4:16: stray character '`'; a symbol with such characters is written between bars: |...|
(declare-const p Bool)
(declare-const q Bool)
(assert (and p `q))
