; expect: 2:2: unknown command 'include'
(include "x.smt2")
