; strict: 2:2: push takes a number of levels
(push)
(pop 1)
(set-info :status sat)
(check-sat)
