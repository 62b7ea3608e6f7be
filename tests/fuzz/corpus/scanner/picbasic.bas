' PicBasic: SYMBOL and labels
Symbol LED = 0
symbol Count = B2
SYMBOL Delay=250
loop: High LED
    gosub wait : Low LED : Goto loop
Wait:
    Pause Delay
    Return
ON idx GOSUB first, Second ,third
FIRST: Return
