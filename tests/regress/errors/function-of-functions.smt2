; expect: 2:18: unknown sort '->'
(declare-fun f ((-> Bool Bool)) Bool)
