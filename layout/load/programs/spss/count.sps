DO IF <<count>> GT 0.
COMPUTE #message=CONCAT(<<before>>LTRIM(STRING(<<count>>,F20)),' <<after>>').
PRINT / #message.
END IF.
