; expect: 2:9: unknown symbol 'later'
(assert later)
(declare-const later Bool)
