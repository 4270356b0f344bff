; expect: 2:2: unknown command 'CHECK-SAT'
(CHECK-SAT)
