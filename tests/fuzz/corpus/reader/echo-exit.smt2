(echo "a ""quoted"" text; no (comment")
(exit)
(whatever follows |is not read
