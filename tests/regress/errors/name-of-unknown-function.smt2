; expect: 3:10: unknown symbol 'fp.less'
(declare-const x Float32)
(assert (fp.less x x))
