# Lets a picture appear as a grid of quads that are too large at first and shrink into their places.
# Vertices hold their place in a quad, in x and y, and the number of the quad, row by row, in z.
[parameters]
float valueX = 0.0            # what a quad is too wide by, as a share of the screen
float valueY = 0.0            # the same of its height
float quadSize = 1.0          # side of a quad, units
float columns = 1.0
float rows = 1.0
float texSizeX = 1.0          # size of the picture, units
float texSizeY = 1.0
float quadSizeX = 1.0         # the side as twice its share of the screen
float quadSizeY = 1.0
float[100] quadsAlpha = 1.0   # of the quads, over and over

[vertex]
out vec2 imageUv;
flat out float alpha;
void effectVertex()
{
    int index = int(position.z + 0.5);
    int across = max(int(columns + 0.5), 1);
    // Whole units again, so that neighbours share their edges.
    vec2 inside = floor(position.xy / scale + 0.5);
    vec2 place = vec2(float(index % across), float(index / across)) * quadSize + inside;
    imageUv = place / vec2(texSizeX, texSizeY) * imageScale;
    alpha = quadsAlpha[index % 100];
    vec2 growth = 2.0 * vec2(valueX, valueY) / max(vec2(quadSizeX, quadSizeY), 0.000001);
    place += (step(0.5, inside) - 0.5) * growth * quadSize;
    gl_Position = projection * modelView * vec4(place * scale, 0.0, 1.0);
}

[fragment]
in vec2 imageUv;
flat in float alpha;
void effectFragment()
{
    // Where the widget is larger than its picture there is nothing to show.
    if (any(greaterThan(imageUv, imageScale)))
        discard;
    result = texture(image, imageUv);
    // A factor above 1 makes nothing more than opaque.
    result *= clamp(alpha, 0.0, 1.0 / max(result.a, 0.001));
}
