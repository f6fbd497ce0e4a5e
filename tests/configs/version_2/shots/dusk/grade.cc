<ColorCorrection id="dusk">
    <SOPNode>
        <Slope>1.1 0.95 0.85</Slope>
        <Offset>0.01 0 -0.01</Offset>
        <Power>1 1 1</Power>
    </SOPNode>
    <SatNode>
        <Saturation>0.9</Saturation>
    </SatNode>
</ColorCorrection>
