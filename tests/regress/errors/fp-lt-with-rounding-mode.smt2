; expect: 4:10: fp.lt: expected a floating-point term, got a term of RoundingMode
(declare-const x Float32)
(declare-const y Float32)
(assert (fp.lt RNE x y))
