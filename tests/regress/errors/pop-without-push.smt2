; expect: 2:2: pop 1: the number of open levels is 0
(pop 1)
