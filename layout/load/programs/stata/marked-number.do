    generate int <<mark>> = max(strpos(<<text>>, "."), strpos(<<text>>, ","))
    replace <<name>> = real(substr(<<text>>, 1, <<mark>> - 1) + "." + substr(<<text>>, <<mark>> + 1, .)) if regexm(<<text>>, "^[+-]?([0-9]+[.,][0-9]*|[.,][0-9]+)$")
    drop <<mark>>
