; expect: 2:19: the sort Bool takes no sorts as arguments
(declare-const f (Bool))
