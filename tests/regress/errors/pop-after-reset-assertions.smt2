; expect: 4:2: pop 1: the number of open levels is 0
(push 2)
(reset-assertions)
(pop 1)
