layer(platform)
layer(core   USES platform shell)
layer(shell  USES core platform)
