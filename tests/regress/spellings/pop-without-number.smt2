; strict: 3:2: pop takes a number of levels
(push 1)
(pop)
(set-info :status sat)
(check-sat)
