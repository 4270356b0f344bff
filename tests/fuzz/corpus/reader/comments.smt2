; first
(check-sat ; within
)
;last