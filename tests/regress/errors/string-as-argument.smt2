; expect: 3:14: string literals are not supported
(declare-const p Bool)
(assert (= p "yes"))
