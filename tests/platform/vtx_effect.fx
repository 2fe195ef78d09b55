[parameters]
float strength = 1
float[4] weights = 0

[vertex]
void effectVertex() {}

[fragment]
void effectFragment() {}
