; expect: 3:8: unknown symbol 'true?'
(assert
		(and true? true))
