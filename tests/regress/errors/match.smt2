; expect: 3:10: match is not supported
(declare-const p Bool)
(assert (match p ((q true))))
