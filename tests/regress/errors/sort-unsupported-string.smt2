; expect: 2:18: String is not supported
(declare-const f String)
