; expect: 2:9: string literals are not supported
(assert "true")
