; expect: 2:12: expected the name of a logic, but 'let' is a reserved word
(set-logic let)
