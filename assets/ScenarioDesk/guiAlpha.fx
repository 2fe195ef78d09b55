# Fades a picture.
[parameters]
float timeCoeff = 1.0   # multiplies the alpha

[vertex]
out vec2 imageUv;
void effectVertex()
{
    gl_Position = projection * modelView * vec4(position, 1.0);
    imageUv = uv;
}

[fragment]
in vec2 imageUv;
void effectFragment()
{
    result = texture(image, imageUv);
    // A factor above 1 makes nothing more than opaque.
    result *= clamp(timeCoeff, 0.0, 1.0 / max(result.a, 0.001));
}
