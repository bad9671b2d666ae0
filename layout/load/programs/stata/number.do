    replace <<text>> = trim(<<text>>)
    generate <<type>> <<name>> = real(<<text>>)<<scale>> if regexm(<<text>>, "^[+-]?[0-9]+$")
<<marked>><<counted>>    drop <<text>>
