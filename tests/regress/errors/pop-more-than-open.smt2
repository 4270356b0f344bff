; expect: 4:2: pop 2: the number of open levels is 1
(push 2)
(pop 1)
(pop 2)
