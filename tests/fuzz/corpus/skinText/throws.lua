error({ code = 1 })
