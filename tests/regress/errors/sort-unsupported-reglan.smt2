; expect: 2:18: RegLan is not supported
(declare-const f RegLan)
