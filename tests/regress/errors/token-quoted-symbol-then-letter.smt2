; expect: 3:9: |p| is followed by 'q' without a blank between
(declare-const p Bool)
(assert |p|q)
