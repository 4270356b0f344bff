; expect: 4:2: unknown symbol 'wrong'
; (assert wrong)
(assert ; wrong )
 wrong)
