; expect: 4:3: unknown symbol 'yes'
(check-sat)
(assert
  yes)
