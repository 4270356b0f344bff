; expect: 3:31: unknown symbol '-2'; a negative number is written (- 2)
(declare-const p Bool)
(assert (let ((-1 p)) (and -1 -2)))
