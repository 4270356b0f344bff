; expect: 3:1: stray byte 0xEF; a symbol with such characters is written between bars: |...|
(check-sat)
﻿(check-sat)
