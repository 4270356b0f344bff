(assert (= #b2 é "x
