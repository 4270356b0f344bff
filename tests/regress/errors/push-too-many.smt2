; expect: 3:2: push 1048574: no more than 1048576 levels can be open
(push 3)
(push 1048574)
