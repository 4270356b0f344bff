; expect: 4:10: fp.lt: expected a floating-point term, got a term of Bool
(declare-const p Bool)
(declare-const x Float32)
(assert (fp.lt p x))
