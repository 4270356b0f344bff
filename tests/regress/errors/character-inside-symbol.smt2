; expect: 2:13: stray character '\'; a symbol with such characters is written between bars: |...|
(assert user\name)
